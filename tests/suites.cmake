# quon_register_suites(<program> PREFIX <prefix> TIMEOUT <seconds> COST <seconds> SOURCES <files>)
#
# Makes one ctest test of every test suite in the sources, named <prefix>.<suite>. A suite is the unit because
# starting a process costs more than most tests do. Each has a desktop for itself while it runs, for the mouse,
# the clipboard and the registry: scripts/test makes a few and tells ctest. COST: the dearest ones run first.
# One more test, <prefix>.every_suite_is_registered, compares the list with what the program itself says: the
# sources are searched at configure time, and a suite that this search missed would never run.
if(CMAKE_HOST_UNIX)
  set(QUON_ON_DESKTOP ${CMAKE_CURRENT_LIST_DIR}/on-desktop)
endif()

# Has the test run while no other one is on its desktop.
function(quon_own_desktop test)
  if(CMAKE_HOST_UNIX)
    set_tests_properties(${test} PROPERTIES RESOURCE_GROUPS desktops:1)
  else()
    set_tests_properties(${test} PROPERTIES RESOURCE_LOCK desktop)
  endif()
endfunction()

function(quon_register_suites program)
  cmake_parse_arguments(ARG "" "PREFIX;TIMEOUT;COST" "SOURCES" ${ARGN})
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
    # TEST_P names are "Prefix/Suite.Test/0", TYPED_TEST names "Suite/0.Test".
    add_test(NAME ${name} COMMAND ${QUON_ON_DESKTOP} ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${program}>
      --gtest_filter=${suite}.*:*/${suite}.*:${suite}/*)
    quon_own_desktop(${name})
    set_tests_properties(${name} PROPERTIES
      TIMEOUT ${ARG_TIMEOUT} COST ${ARG_COST} LABELS ${ARG_PREFIX} FAIL_REGULAR_EXPRESSION "Running 0 tests")
  endforeach()

  string(REPLACE ";" "," suites "${suites}")
  add_test(NAME ${ARG_PREFIX}.every_suite_is_registered
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${program}> -DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}
      -DSUITES=${suites} -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/check_suites.cmake)
  set_tests_properties(${ARG_PREFIX}.every_suite_is_registered PROPERTIES TIMEOUT 60 LABELS ${ARG_PREFIX})
endfunction()
