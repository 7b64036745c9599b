# The type library is written once, in IDL, and widl makes from it both the .tlb that
# the DLL embeds and the C++ header the classes implement.
#
# The IDL goes through the C preprocessor first (widl's own lacks variadic macros).
# It is read twice:
#   - for the type library, as written;
#   - for the C++ header with VX_CPP_HEADER defined, which turns the enumerations into
#     LONG typedefs and gives the records C++ names of their own, so that neither
#     collides with the platform headers' macros and structures of the same names.

find_program(VX_WIDL_EXE NAMES ${VX_WIDL} REQUIRED)
find_program(VX_PERL_EXE NAMES perl REQUIRED)
set(VX_WINE_IDL_DIR /usr/include/wine/wine/windows CACHE PATH "The .idl files of the Windows SDK (Debian package libwine-dev)")
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(_vx_widl_arch --win64)
else()
  set(_vx_widl_arch --win32)
endif()
# importlib only names stdole's types, so either word size's stdole2.tlb serves.
set(VX_STDOLE_DIR /usr/lib/x86_64-linux-gnu/wine/x86_64-windows CACHE PATH "Folder holding stdole2.tlb for importlib (Debian package wine64)")

# vx_typelib(<idl> <output name> DEPENDS <included fragments...>)
# Produces <bin>/<name>.tlb, <bin>/<name>.h, <bin>/<name>_i.c and <bin>/<name>Enums.h (the
# enumerations' values as C++ constants, see cmake/enum-constants.pl).
function(vx_typelib idl name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  set(out ${CMAKE_CURRENT_BINARY_DIR})
  get_filename_component(idl_dir ${idl} DIRECTORY)
  set(cpp ${CMAKE_C_COMPILER} -E -P -x c -I${idl_dir})
  set(widl ${VX_WIDL_EXE} ${_vx_widl_arch} -I${VX_WINE_IDL_DIR} -L${VX_STDOLE_DIR} -L${out})
  # The type libraries of other components that the library imports (importlib), made
  # from the SDK's IDL: MSXML 6's, for IXMLDOMNode.
  add_custom_command(
    OUTPUT ${out}/msxml6.tlb
    COMMAND ${widl} -t -o ${out}/msxml6.tlb ${PROJECT_SOURCE_DIR}/cmake/msxml6-tlb.idl
    DEPENDS ${PROJECT_SOURCE_DIR}/cmake/msxml6-tlb.idl
    COMMENT "Imported type library msxml6 (widl)"
    VERBATIM)
  # The C++ files are written into fresh/ and replace the used ones only when their text
  # changes, so that an edit that reaches only the type library (a help string) rebuilds
  # no code.
  set(cxx ${name}.h ${name}_i.c ${name}Enums.h)
  list(TRANSFORM cxx PREPEND ${out}/fresh/ OUTPUT_VARIABLE fresh)
  list(TRANSFORM cxx PREPEND ${out}/ OUTPUT_VARIABLE used)
  add_custom_command(
    OUTPUT ${used}
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${fresh} ${out}
    DEPENDS ${fresh}
    VERBATIM)
  add_custom_command(
    OUTPUT ${out}/${name}.tlb ${fresh}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${out}/fresh
    COMMAND ${cpp} ${idl} -o ${out}/${name}.tlb.idl
    COMMAND ${cpp} -DVX_CPP_HEADER ${idl} -o ${out}/${name}.h.idl
    # widl warns of every non-zero default on a pointer parameter, which in a type library
    # is simply the value a by-reference parameter receives when omitted (the unit tests
    # check that it arrives); that one message is left out, widl's exit status kept.
    COMMAND bash -c "set -o pipefail; \"$@\" 2>&1 | { grep -v 'non-null pointer default value' || true; }"
            widl ${widl} -t -o ${out}/${name}.tlb ${out}/${name}.tlb.idl
    COMMAND ${VX_PERL_EXE} ${PROJECT_SOURCE_DIR}/cmake/tlb-fixups.pl ${out}/${name}.tlb ${out}/${name}.tlb.idl
    COMMAND ${widl} -h -o ${out}/fresh/${name}.h ${out}/${name}.h.idl
    COMMAND ${widl} -u -o ${out}/fresh/${name}_i.c ${out}/${name}.h.idl
    COMMAND ${VX_PERL_EXE} ${PROJECT_SOURCE_DIR}/cmake/enum-constants.pl ${out}/${name}.tlb.idl ${out}/fresh/${name}Enums.h
    DEPENDS ${idl} ${ARG_DEPENDS} ${out}/msxml6.tlb ${PROJECT_SOURCE_DIR}/cmake/tlb-fixups.pl ${PROJECT_SOURCE_DIR}/cmake/enum-constants.pl
    COMMENT "Type library ${name} (widl)"
    VERBATIM)
endfunction()
