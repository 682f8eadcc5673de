include(GenerateExportHeader)

# raidmonitoring_add_layer(NAME SOURCES...): the objects of one folder, compiled once and linked both
# into the shared library and, with everything visible, into the tests.
function(raidmonitoring_add_layer name)
  add_library(${name} OBJECT ${ARGN})
  target_link_libraries(${name} PRIVATE raidmonitoring_options)
  set_target_properties(${name} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    # Each file has names of its own, whatever an outer project prefers for its files.
    UNITY_BUILD OFF)
endfunction()

# raidmonitoring_add_export_header(TARGET FOLDER BASE): generated/FOLDER/BASEExport.h with BASE_EXPORT,
# which marks what the shared library shows. Objects are always compiled as for the shared library.
function(raidmonitoring_add_export_header target folder base)
  string(TOUPPER ${base} upper)
  generate_export_header(${target} BASE_NAME ${base}
    EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/generated/${folder}/${base}Export.h
    EXPORT_MACRO_NAME ${upper}_EXPORT)
endfunction()
