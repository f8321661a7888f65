# A target can include only the headers of the targets that it links: the compiler does not find others. No target has a
# folder of sources in its include path. Instead, each has a folder in the build tree with symbolic links to its own headers,
# and those that link the target get this folder too.

# show_headers(TARGET SCOPE PREFIX FOLDER [NAME ...]): lets the target include headers of FOLDER as "PREFIX/NAME": those that
# are named, or all. SCOPE is as in target_include_directories: PUBLIC lets all that link the target include them too.
function(show_headers target scope prefix folder)
  set(root ${CMAKE_BINARY_DIR}/include/${target})
  if(ARGN)
    file(MAKE_DIRECTORY ${root}/${prefix})
    foreach(name ${ARGN})
      file(CREATE_LINK ${folder}/${name} ${root}/${prefix}/${name} SYMBOLIC)
    endforeach()
  else()
    get_filename_component(parent ${root}/${prefix} DIRECTORY)
    file(MAKE_DIRECTORY ${parent})
    file(CREATE_LINK ${folder} ${root}/${prefix} SYMBOLIC)
  endif()
  target_include_directories(${target} ${scope} ${root})
endfunction()

# publish_headers(TARGET PREFIX FOLDER): a target of headers only, for both sides of a boundary.
function(publish_headers target prefix folder)
  add_library(${target} INTERFACE)
  show_headers(${target} INTERFACE ${prefix} ${folder})
endfunction()
