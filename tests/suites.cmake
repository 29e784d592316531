# quon_register_suites(<program> PREFIX <prefix> TIMEOUT <seconds> SOURCES <files> [SCREEN])
#
# Makes one ctest test of every test suite in the sources, named <prefix>.<suite>. A suite is the unit because
# starting a process costs more than most tests do. SCREEN: the suites move the mouse and own the screen, so
# only one of them may run at a time. Without it that goes for the suites whose name ends in "DesktopTest"
# only; the others run meanwhile on a desktop of their own where there is one, one at a time as well, because
# they share its clipboard and its registry.
# One more test, <prefix>.every_suite_is_registered, compares the list with what the program itself says: the
# sources are searched at configure time, and a suite that this search missed would never run.
function(quon_register_suites program)
  cmake_parse_arguments(ARG "SCREEN" "PREFIX;TIMEOUT" "SOURCES" ${ARGN})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ARG_SOURCES})
  set(suites)
  foreach(source IN LISTS ARG_SOURCES)
    file(STRINGS ${source} lines REGEX "^(TEST|TEST_F|TEST_P|TYPED_TEST)\\(")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^[A-Z_]+\\( *([A-Za-z0-9_]+).*" "\\1" suite "${line}")
      list(APPEND suites ${suite})
    endforeach()
  endforeach()
  list(REMOVE_DUPLICATES suites)

  foreach(suite IN LISTS suites)
    set(name ${ARG_PREFIX}.${suite})
    set(launcher ${CMAKE_CROSSCOMPILING_EMULATOR})
    if(ARG_SCREEN OR suite MATCHES "DesktopTest$")
      set(lane screen)
    else()
      set(lane background)
      if(CMAKE_HOST_UNIX)
        list(PREPEND launcher ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/in-background)
      endif()
    endif()
    # TEST_P names are "Prefix/Suite.Test/0", TYPED_TEST names "Suite/0.Test".
    add_test(NAME ${name} COMMAND ${launcher} $<TARGET_FILE:${program}>
      --gtest_filter=${suite}.*:*/${suite}.*:${suite}/*)
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK ${lane}
      TIMEOUT ${ARG_TIMEOUT} LABELS ${ARG_PREFIX} FAIL_REGULAR_EXPRESSION "Running 0 tests")
  endforeach()

  string(REPLACE ";" "," suites "${suites}")
  add_test(NAME ${ARG_PREFIX}.every_suite_is_registered
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${program}> -DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}
      -DSUITES=${suites} -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/check_suites.cmake)
  set_tests_properties(${ARG_PREFIX}.every_suite_is_registered PROPERTIES TIMEOUT 60 LABELS ${ARG_PREFIX})
endfunction()
