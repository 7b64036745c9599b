# The library is built in layers: one static library per subsystem, each naming the
# subsystems it builds on. A subsystem may depend only on subsystems declared before it,
# so the declarations cannot form a cycle; and the build checks that every source and
# header includes only its own subsystem's headers and those of the subsystems it
# depends on (directly or through them).
#
#   vx_subsystem(<name> [FOLDERS <dir>...]        folders below src/ (default: the current one)
#                       [DEPENDS <subsystem>...]  the subsystems it builds on
#                       [SOURCES <file>...]       its .cpp files
#                       [LIBRARIES <lib>...])     the system libraries its code calls
#
# makes the target vx_<name>. A subsystem without sources yet is an interface library,
# so that the layers stand before the classes that fill them.
#
#   vx_check_layers()   after the last vx_subsystem: adds the include checks.

set(VX_SOURCE_ROOT ${PROJECT_SOURCE_DIR}/src)
set_property(GLOBAL PROPERTY VX_SUBSYSTEMS "")

function(vx_subsystem name)
  cmake_parse_arguments(ARG "" "" "FOLDERS;DEPENDS;SOURCES;LIBRARIES" ${ARGN})
  get_property(declared GLOBAL PROPERTY VX_SUBSYSTEMS)
  if(name IN_LIST declared)
    message(FATAL_ERROR "subsystem ${name} is declared twice")
  endif()
  set(closure "")
  foreach(dep IN LISTS ARG_DEPENDS)
    if(NOT dep IN_LIST declared)
      message(FATAL_ERROR "subsystem ${name} depends on ${dep}, which is not declared before it: "
                          "a subsystem builds only on the layers below it (see src/CMakeLists.txt)")
    endif()
    get_property(below GLOBAL PROPERTY VX_SUBSYSTEM_${dep}_CLOSURE)
    list(APPEND closure ${dep} ${below})
  endforeach()
  list(REMOVE_DUPLICATES closure)
  if(NOT ARG_FOLDERS)
    file(RELATIVE_PATH folder ${VX_SOURCE_ROOT} ${CMAKE_CURRENT_SOURCE_DIR})
    set(ARG_FOLDERS ${folder})
  endif()
  set_property(GLOBAL APPEND PROPERTY VX_SUBSYSTEMS ${name})
  set_property(GLOBAL PROPERTY VX_SUBSYSTEM_${name}_CLOSURE "${closure}")
  set_property(GLOBAL PROPERTY VX_SUBSYSTEM_${name}_FOLDERS "${ARG_FOLDERS}")

  set(deps "")
  foreach(dep IN LISTS ARG_DEPENDS)
    list(APPEND deps vx_${dep})
  endforeach()
  if(ARG_SOURCES)
    add_library(vx_${name} STATIC ${ARG_SOURCES})
    target_link_libraries(vx_${name} PUBLIC vx_typelib vx_platform ${deps} ${ARG_LIBRARIES} PRIVATE vx_warnings)
  else()
    add_library(vx_${name} INTERFACE)
    target_link_libraries(vx_${name} INTERFACE vx_typelib vx_platform ${deps} ${ARG_LIBRARIES})
  endif()
endfunction()

function(vx_check_layers)
  get_property(subsystems GLOBAL PROPERTY VX_SUBSYSTEMS)
  # Every subsystem's folders, as "name=folder" pairs, for the check to tell who owns an include.
  set(owners "")
  foreach(s IN LISTS subsystems)
    get_property(folders GLOBAL PROPERTY VX_SUBSYSTEM_${s}_FOLDERS)
    foreach(f IN LISTS folders)
      list(APPEND owners "${s}=${f}")
    endforeach()
  endforeach()
  string(REPLACE ";" "," owners "${owners}")
  foreach(s IN LISTS subsystems)
    get_property(folders GLOBAL PROPERTY VX_SUBSYSTEM_${s}_FOLDERS)
    get_property(closure GLOBAL PROPERTY VX_SUBSYSTEM_${s}_CLOSURE)
    set(files "")
    foreach(f IN LISTS folders)
      file(GLOB found CONFIGURE_DEPENDS ${VX_SOURCE_ROOT}/${f}/*.h ${VX_SOURCE_ROOT}/${f}/*.cpp)
      list(APPEND files ${found})
    endforeach()
    if(NOT files)
      continue()
    endif()
    set(stamp ${PROJECT_BINARY_DIR}/layers/${s}.checked)
    string(REPLACE ";" "," allowed "${s};${closure}")
    string(REPLACE ";" "," fileList "${files}")
    add_custom_command(OUTPUT ${stamp}
      COMMAND ${CMAKE_COMMAND} -DSUBSYSTEM=${s} -DALLOWED=${allowed} -DOWNERS=${owners} -DROOT=${VX_SOURCE_ROOT}
              -DFILES=${fileList} -DSTAMP=${stamp} -P ${PROJECT_SOURCE_DIR}/cmake/check-includes.cmake
      DEPENDS ${files} ${PROJECT_SOURCE_DIR}/cmake/check-includes.cmake
      COMMENT "Layers: what ${s} includes"
      VERBATIM)
    add_custom_target(vx_${s}_layers DEPENDS ${stamp})
    add_dependencies(vx_${s} vx_${s}_layers)
  endforeach()
endfunction()
