# The folder of the programs. They find each other by relative paths, so its layout is the same in the build tree (build/app)
# and where it is installed, and it can be moved.
include(GNUInstallDirs)
set(APP_DIR ${CMAKE_BINARY_DIR}/app)
set(APP_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/velorant)
# Debian's zsh reads another folder for what packages install.
set(ZSH_COMPLETION_DIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING "Where zsh finds completions")

# place_in_app(TARGET FOLDER): builds and installs the program or library in FOLDER, relative to the folder of the programs.
# The target finds libplatform.so relative to itself.
function(place_in_app target folder)
  file(RELATIVE_PATH to_libraries /${folder} /lib)
  string(REGEX REPLACE "/$" "" origin "$ORIGIN/${to_libraries}")
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${APP_DIR}/${folder}
    LIBRARY_OUTPUT_DIRECTORY ${APP_DIR}/${folder}
    INSTALL_RPATH ${origin}
    BUILD_WITH_INSTALL_RPATH ON)
  install(TARGETS ${target}
    RUNTIME DESTINATION ${APP_INSTALL_DIR}/${folder}
    LIBRARY DESTINATION ${APP_INSTALL_DIR}/${folder})
endfunction()

# place_files_in_app(FROM FOLDER): copies the files of a folder of the sources to FOLDER, relative to the folder of the programs,
# and installs them there.
function(place_files_in_app from folder)
  file(GLOB files CONFIGURE_DEPENDS ${from}/*)
  foreach(file ${files})
    get_filename_component(name ${file} NAME)
    configure_file(${file} ${APP_DIR}/${folder}/${name} COPYONLY)
  endforeach()
  install(FILES ${files} DESTINATION ${APP_INSTALL_DIR}/${folder})
endfunction()

# put_on_path(NAME PROGRAM): installs a link NAME, by which users call the program. PROGRAM is relative to the folder of the
# programs.
function(put_on_path name program)
  file(RELATIVE_PATH to_program ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/velorant/${program})
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  file(CREATE_LINK ${to_program} ${CMAKE_BINARY_DIR}/bin/${name} SYMBOLIC)
  install(FILES ${CMAKE_BINARY_DIR}/bin/${name} DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# install_words(TARGET NAME [PAGE]): installs the completions of the program NAME for three shells, and its manual page: the
# file PAGE, or else what the program prints. The program writes them from its table of options, so it must run where it is
# built.
function(install_words target name)
  set(written)
  set(folder ${CMAKE_CURRENT_BINARY_DIR})
  foreach(shell bash zsh fish)
    list(APPEND written COMMAND ${target} --completion ${shell} > ${folder}/${name}.${shell})
  endforeach()
  if(NOT ARGN)
    list(APPEND written COMMAND ${target} --manual > ${folder}/${name}.1)
    set(ARGN ${folder}/${name}.1)
  endif()
  add_custom_command(TARGET ${target} POST_BUILD ${written} VERBATIM)
  install(FILES ${ARGN} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${folder}/${name}.bash RENAME ${name} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES ${folder}/${name}.zsh RENAME _${name} DESTINATION ${ZSH_COMPLETION_DIR})
  install(FILES ${folder}/${name}.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endfunction()

# add_bundle(TARGET NAME KIND FOLDER PLIST [RESOURCE ...]): a loadable shared object NAME with its Info.plist and resources
# in FOLDER/NAME.KIND.
function(add_bundle target name kind folder plist)
  set(bundle ${folder}/${name}.${kind})
  set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX "" OUTPUT_NAME ${name} LIBRARY_OUTPUT_DIRECTORY ${bundle})
  configure_file(${plist} ${bundle}/Info.plist COPYONLY)
  foreach(resource ${ARGN})
    get_filename_component(file ${resource} NAME)
    configure_file(${resource} ${bundle}/Resources/${file} COPYONLY)
  endforeach()
endfunction()

# add_app_bundle(TARGET NAME KIND FOLDER PLIST [RESOURCE ...]): the same, installed with the programs. FOLDER is relative to
# the folder of the programs.
function(add_app_bundle target name kind folder plist)
  place_in_app(${target} ${folder}/${name}.${kind})
  add_bundle(${target} ${name} ${kind} ${APP_DIR}/${folder} ${plist} ${ARGN})
  install(FILES ${plist} DESTINATION ${APP_INSTALL_DIR}/${folder}/${name}.${kind})
  if(ARGN)
    install(FILES ${ARGN} DESTINATION ${APP_INSTALL_DIR}/${folder}/${name}.${kind}/Resources)
  endif()
endfunction()
