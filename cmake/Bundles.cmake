# add_bundle(TARGET NAME KIND FOLDER PLIST [RESOURCE ...]): a loadable shared object NAME with its Info.plist and resources
# in FOLDER/NAME.KIND.
function(add_bundle target name kind folder plist)
  set(bundle ${folder}/${name}.${kind})
  set_target_properties(${target} PROPERTIES
    PREFIX "" SUFFIX "" OUTPUT_NAME ${name}
    LIBRARY_OUTPUT_DIRECTORY ${bundle})
  configure_file(${plist} ${bundle}/Info.plist COPYONLY)
  foreach(resource ${ARGN})
    get_filename_component(file ${resource} NAME)
    configure_file(${resource} ${bundle}/Resources/${file} COPYONLY)
  endforeach()
endfunction()
