cmake_policy(SET CMP0057 NEW)  # IN_LIST
# Fails unless every DLL that the library imports is part of Windows itself.
execute_process(COMMAND ${OBJDUMP} -p ${DLL} OUTPUT_VARIABLE dump RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "objdump failed on ${DLL}")
endif()
string(REGEX MATCHALL "DLL Name: [^\n]+" names "${dump}")
set(system advapi32.dll kernel32.dll msvcrt.dll ole32.dll oleaut32.dll user32.dll gdi32.dll shell32.dll
    shlwapi.dll winmm.dll winspool.drv wsock32.dll ws2_32.dll iphlpapi.dll sensapi.dll wininet.dll
    urlmon.dll userenv.dll netapi32.dll icmp.dll imagehlp.dll comdlg32.dll version.dll mpr.dll)
foreach(entry IN LISTS names)
  string(REGEX REPLACE "DLL Name: " "" name "${entry}")
  string(TOLOWER "${name}" name)
  if(NOT name IN_LIST system)
    message(FATAL_ERROR "Vx_Main.dll imports ${name}, which is not a system DLL")
  endif()
  message(STATUS "imports ${name}")
endforeach()
