# quon_delay_load(<library> <function>:<bytes of its arguments>...)
#
# Makes an import library, ${CMAKE_BINARY_DIR}/delay-load/lib<library>.a, with which a library of Windows is
# loaded when one of these functions is called for the first time, not at the start. For libraries that few
# sessions use and that bring others with them. On the linker's line it has to come before the library of the
# same name that loads at the start; it needs delayimp, and the options in QUON_DELAY_LOAD_OPTIONS.
function(quon_delay_load library)
  # 32-bit code calls the functions by their names and the bytes that they take from the stack.
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    list(TRANSFORM ARGN REPLACE ":" "@")
    set(machine i386)
    # GNU's linker takes a stub that no call goes to for superfluous, though the stored address leads to it, and
    # leaves 0 there: the first call would end the program. A stub that is asked for stays.
    foreach(function IN LISTS ARGN)
      list(APPEND QUON_DELAY_LOAD_OPTIONS -Wl,-u,_${function})
    endforeach()
    set(QUON_DELAY_LOAD_OPTIONS ${QUON_DELAY_LOAD_OPTIONS} PARENT_SCOPE)
  else()
    list(TRANSFORM ARGN REPLACE ":.*" "")
    set(machine i386:x86-64)
  endif()
  list(JOIN ARGN "\n" functions)
  set(folder ${CMAKE_BINARY_DIR}/delay-load)
  file(CONFIGURE OUTPUT ${folder}/${library}.def CONTENT "LIBRARY ${library}.dll\nEXPORTS\n${functions}\n" @ONLY)
  add_custom_command(OUTPUT ${folder}/lib${library}.a
    COMMAND ${CMAKE_DLLTOOL} --machine ${machine} --kill-at --temp-prefix ${library}
            --input-def ${library}.def --output-delaylib lib${library}.a
    DEPENDS ${folder}/${library}.def WORKING_DIRECTORY ${folder} VERBATIM)
  add_custom_target(quon_delay_${library} DEPENDS ${folder}/lib${library}.a)
endfunction()
