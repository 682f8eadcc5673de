# Writes the page's Content-Security-Policy: nothing may be loaded, and nothing may run or style the
# page but the script and the style that it is built with. Arguments: OUT, STYLE, SCRIPT.
cmake_minimum_required(VERSION 3.25)
set(alphabet "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")

# The SHA-256 of a file as a policy names it, in Base64: three hexadecimal digits are two characters.
function(hash_of file result)
  file(SHA256 "${file}" digits)
  string(APPEND digits "00")
  set(text "")
  foreach(place RANGE 0 63 3)
    string(SUBSTRING "${digits}" ${place} 3 group)
    math(EXPR first "0x${group} >> 6")
    math(EXPR second "0x${group} & 63")
    string(SUBSTRING "${alphabet}" ${first} 1 first)
    string(SUBSTRING "${alphabet}" ${second} 1 second)
    string(APPEND text "${first}${second}")
  endforeach()
  # The last of the 44 characters holds nothing but what was filled up.
  string(SUBSTRING "${text}" 0 43 text)
  set(${result} "'sha256-${text}='" PARENT_SCOPE)
endfunction()

hash_of("${STYLE}" style)
hash_of("${SCRIPT}" script)
file(WRITE "${OUT}" "default-src 'none'; style-src ${style}; script-src ${script}; \
base-uri 'none'; form-action 'none'")
