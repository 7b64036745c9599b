cmake_policy(VERSION 3.21)
# Fails when a file of a subsystem includes a header of a subsystem it does not build on.
#   cmake -DSUBSYSTEM=text -DALLOWED=text,dispatch,... -DOWNERS=runtime=core/runtime,...
#         -DROOT=<src> -DFILES=a.cpp,b.h -DSTAMP=<file> -P check-includes.cmake
# An include is owned by the subsystem whose folder is its longest leading folder; an
# include that no folder owns (a generated header, a system header) is always allowed.
string(REPLACE "," ";" allowed "${ALLOWED}")
string(REPLACE "," ";" owners "${OWNERS}")
string(REPLACE "," ";" files "${FILES}")

set(problems "")
foreach(file IN LISTS files)
  file(STRINGS ${file} lines REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*\"([^\"]*)\".*" "\\1" header "${line}")
    set(owner "")
    set(ownerLength 0)
    foreach(pair IN LISTS owners)
      string(REGEX REPLACE "=.*" "" name "${pair}")
      string(REGEX REPLACE "^[^=]*=" "" folder "${pair}")
      string(LENGTH "${folder}/" length)
      string(SUBSTRING "${header}" 0 ${length} lead)
      if(lead STREQUAL "${folder}/" AND length GREATER ownerLength)
        # Only the folder itself, not one below it that another subsystem owns.
        string(SUBSTRING "${header}" ${length} -1 rest)
        if(NOT rest MATCHES "/")
          set(owner ${name})
          set(ownerLength ${length})
        endif()
      endif()
    endforeach()
    if(owner AND NOT owner IN_LIST allowed)
      file(RELATIVE_PATH shown ${ROOT} ${file})
      list(APPEND problems "  ${shown} includes ${header} (${owner})")
    endif()
  endforeach()
endforeach()

if(problems)
  string(REPLACE ";" "\n" problems "${problems}")
  string(REPLACE "," ", " allowed "${ALLOWED}")
  message(FATAL_ERROR "subsystem ${SUBSYSTEM} may include only headers of ${allowed}:\n${problems}\n"
                      "Move the shared code below both subsystems, or declare the dependency in its CMakeLists.txt.")
endif()
file(WRITE ${STAMP} "${SUBSYSTEM}: includes checked\n")
