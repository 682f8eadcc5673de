# What the shells need to complete the command line, written by the program itself and installed where
# they look. A program for another system can't run here unless an emulator is told.

if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
  return()
endif()

set(completions ${PROJECT_BINARY_DIR}/completions)
file(MAKE_DIRECTORY ${completions})

# raidmonitoring_complete(SHELL NAME FOLDER)
function(raidmonitoring_complete shell name folder)
  add_custom_command(OUTPUT ${completions}/${name}
    COMMAND raidmonitor completions ${shell} > ${completions}/${name}
    DEPENDS raidmonitor COMMENT "Completions for ${shell}" VERBATIM)
  install(FILES ${completions}/${name}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder} COMPONENT application)
endfunction()

raidmonitoring_complete(bash raidmonitor bash-completion/completions)
raidmonitoring_complete(zsh _raidmonitor zsh/site-functions)
raidmonitoring_complete(fish raidmonitor.fish fish/vendor_completions.d)
add_custom_target(raidmonitor_completions ALL DEPENDS
  ${completions}/raidmonitor ${completions}/_raidmonitor ${completions}/raidmonitor.fish)
