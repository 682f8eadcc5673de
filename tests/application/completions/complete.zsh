# complete.zsh FOLDER LINE: prints what an interactive zsh offers at the end of LINE, a line each. FOLDER
# has the file _raidmonitor, and gets others.
zmodload zsh/zpty
export COMPLETIONS=$1 OFFERS=$1/offers
zpty shell "TERM=dumb zsh -f -i"
setup=$(cat <<'END'
PROMPT= PROMPT2= RPROMPT=
fpath=($COMPLETIONS $fpath)
autoload -Uz compinit && compinit -u -D
compadd() {
  local -a offered
  if [[ ${@[1,(i)(-|--)]} != *-[OAD]\ * ]]; then
    builtin compadd -O offered "$@"
    print -rl -- $offered >>$OFFERS
  fi
  builtin compadd "$@"
}
tell() { print -r -- COMPLETION-ENDED; exit }
comppostfuncs=(tell)
zstyle ':completion:*' insert-tab false
bindkey '^I' complete-word
print -r -- COMPLETION-"READY"
END
)
print -r -- $setup >$COMPLETIONS/setup
zpty -w shell "source $COMPLETIONS/setup"
zpty -r shell ignored '*COMPLETION-READY*'
zpty -n -w shell "$2"$'\t'
zpty -r shell ignored '*COMPLETION-ENDED*'
zpty -d shell
touch $OFFERS
grep -v '^$' $OFFERS | sort -u
exit 0
