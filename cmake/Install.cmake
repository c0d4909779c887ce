# `cmake --install`: programs that users start go to bin, those that they never name to libexec/platen, what all of them
# load to share/platen. They find each other from where they lie (base/ProgramFolders.h), so any prefix will do.
install(TARGETS platen-unit zmbench zmctl DESTINATION bin)
install(TARGETS Platen zmdiscd zmcover zmdecode zmdvd zmfilm DESTINATION libexec/platen)
install(PROGRAMS resources/make-demo-disc DESTINATION bin RENAME platen-demo-disc)
install(DIRECTORY resources/ DESTINATION share/platen/rccs FILES_MATCHING PATTERN "*.zmrc_device" PATTERN "*.zmrc")
install(DIRECTORY ${ZM_SHARE}/fonts DESTINATION share/platen)
install(DIRECTORY web DESTINATION share/platen PATTERN node_modules EXCLUDE)

# The services name their program with its whole path.
foreach(service user/platen-unit system/platen-kiosk)
  cmake_path(GET service FILENAME name)
  cmake_path(GET service PARENT_PATH kind)
  install(FILES deploy/systemd/${name}.service DESTINATION lib/systemd/${kind})
  install(CODE "
    set(service \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/lib/systemd/${kind}/${name}.service\")
    file(READ \"\${service}\" text)
    string(REPLACE /usr/bin/ \"\${CMAKE_INSTALL_PREFIX}/bin/\" text \"\${text}\")
    file(WRITE \"\${service}\" \"\${text}\")")
endforeach()

install(FILES deploy/desktop/org.platen.unit.desktop DESTINATION share/applications)
install(FILES deploy/desktop/org.platen.unit.metainfo.xml DESTINATION share/metainfo)
install(FILES deploy/desktop/org.platen.unit.svg DESTINATION share/icons/hicolor/scalable/apps)

# What a shell needs to complete zmctl, by zmctl.
if(NOT CMAKE_CROSSCOMPILING)
  set(completions ${CMAKE_BINARY_DIR}/completions)
  file(MAKE_DIRECTORY ${completions})
  foreach(shell bash zsh fish)
    add_custom_command(OUTPUT ${completions}/zmctl.${shell} DEPENDS zmctl VERBATIM
      COMMAND sh -c "'$<TARGET_FILE:zmctl>' completion ${shell} >'${completions}/zmctl.${shell}'")
    list(APPEND completion_files ${completions}/zmctl.${shell})
  endforeach()
  add_custom_target(completions ALL DEPENDS ${completion_files})
  install(FILES ${completions}/zmctl.bash DESTINATION share/bash-completion/completions RENAME zmctl)
  install(FILES ${completions}/zmctl.zsh DESTINATION share/zsh/vendor-completions RENAME _zmctl)
  install(FILES ${completions}/zmctl.fish DESTINATION share/fish/vendor_completions.d)
endif()

# The manual, where there is scdoc. The commands of zmctl are described by zmctl itself.
find_program(SCDOC scdoc)
if(SCDOC AND NOT CMAKE_CROSSCOMPILING)
  file(GLOB pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/*.scd)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/man)
  foreach(page IN LISTS pages)
    cmake_path(GET page STEM LAST_ONLY name)
    cmake_path(GET name EXTENSION LAST_ONLY section)
    string(SUBSTRING ${section} 1 -1 section)
    add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/man/${name} DEPENDS ${page} ${PROJECT_SOURCE_DIR}/deploy/manual-page zmctl VERBATIM
      COMMAND deploy/manual-page ${SCDOC} $<TARGET_FILE:zmctl> ${page} ${CMAKE_BINARY_DIR}/man/${name}
      WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
    list(APPEND manual ${CMAKE_BINARY_DIR}/man/${name})
    install(FILES ${CMAKE_BINARY_DIR}/man/${name} DESTINATION share/man/man${section})
  endforeach()
  add_custom_target(manual ALL DEPENDS ${manual})
endif()
