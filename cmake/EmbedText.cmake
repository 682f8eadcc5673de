# raidmonitoring_embed_text(OUT SYMBOL HEADER FILE...): writes, while building, a source file OUT that
# includes HEADER and defines SYMBOL, an array with one EmbeddedText for each FILE in the order given,
# and SYMBOLCount, their number. SYMBOL may be qualified (Some::names). HEADER declares, in the same
# namespace:
#   struct EmbeddedText {
#     std::string_view name;                // of the file, without its folder
#     const std::string_view* pieces;       // one after the other, the file's text; all but the last
#     std::size_t pieceCount;               // end with a line
#   };
#   extern const EmbeddedText SYMBOL[];
#   extern const std::size_t SYMBOLCount;
# Text files only. Pieces, because no compiler owes us a literal of more than 65,536 bytes.
function(raidmonitoring_embed_text out symbol header)
  add_custom_command(
    OUTPUT ${out}
    COMMAND ${CMAKE_COMMAND} -DOUT=${out} -DSYMBOL=${symbol} -DHEADER=${header} "-DFILES=${ARGN}"
            -P ${PROJECT_SOURCE_DIR}/cmake/WriteEmbeddedText.cmake
    DEPENDS ${ARGN} ${PROJECT_SOURCE_DIR}/cmake/WriteEmbeddedText.cmake
    COMMENT "Embedding ${symbol}" VERBATIM)
endfunction()
