#!/usr/bin/sed -Ef
# Makes the plain comments of a header ones that Doxygen reads: a comment of its own line speaks of
# what follows, one behind code of what it stands behind. A line of dashes is a heading, no comment.
/^ *\/\/ ----/b
s|^( *)//( .*)?$|\1///\2|
s|^(.*[;,{)]) +// (.*)$|\1  ///< \2|
# Names as they stand, in comments only.
/\/\/\//s/(#|@|\\)/\\\1/g
/\/\/\//s/<([A-Za-z]+)>/\\<\1\\>/g
