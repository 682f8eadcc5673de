# complete.bash SCRIPT WORD...: prints what bash offers in the place of the last word, a line each.
# With bash-completion where it is installed, as people have it.
script=$1
shift
if [ -z "${WITHOUT_BASH_COMPLETION:-}" ]; then . /usr/share/bash-completion/bash_completion; fi
. "$script"
COMP_WORDS=(raidmonitor "$@")
COMP_CWORD=$#
COMP_LINE="${COMP_WORDS[*]}"
COMP_POINT=${#COMP_LINE}
registered=$(complete -p raidmonitor) || exit 1
read -r _ _ function _ <<<"$registered"
"$function" raidmonitor "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD-1]}" 2>/dev/null
[ ${#COMPREPLY[@]} = 0 ] || printf '%s\n' "${COMPREPLY[@]}"
