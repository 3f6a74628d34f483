# vesko_python_tests(FILE [LABELS ...] [TIMEOUT seconds] [PROCESSORS n] [ENVIRONMENT NAME=VALUE ...])
# Makes each test method of a unittest module known to ctest as "Class.method", so that one that is skipped is
# counted as skipped, with its reason.
# The system's own interpreter comes first: the bindings of the accessibility bus are packaged for that one alone.
find_program(VESKO_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH)
find_program(VESKO_PYTHON python3 REQUIRED)

function(vesko_python_tests FILE)
  cmake_parse_arguments(ARG "" "TIMEOUT;PROCESSORS" "LABELS;ENVIRONMENT" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  if(NOT ARG_PROCESSORS)
    set(ARG_PROCESSORS 1)
  endif()
  set(path "${CMAKE_CURRENT_SOURCE_DIR}/${FILE}")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${path}")
  file(STRINGS "${path}" lines REGEX "^class |^    def test")
  set(class "")
  foreach(line IN LISTS lines)
    if(line MATCHES "^class ([A-Za-z0-9_]+)")
      set(class "${CMAKE_MATCH_1}")
    elseif(line MATCHES "def (test[A-Za-z0-9_]*)")
      set(name "${class}.${CMAKE_MATCH_1}")
      add_test(NAME "${name}"
        COMMAND "${VESKO_PYTHON}" -B "${CMAKE_SOURCE_DIR}/tests/support/run_python_test.py" "${path}" "${name}")
      set_tests_properties("${name}" PROPERTIES
        SKIP_RETURN_CODE 77 TIMEOUT "${ARG_TIMEOUT}" PROCESSORS "${ARG_PROCESSORS}"
        LABELS "${ARG_LABELS}"
        ENVIRONMENT "VESKO_SOURCE=${CMAKE_SOURCE_DIR};VESKO_BUILD=${CMAKE_BINARY_DIR};${ARG_ENVIRONMENT}")
    endif()
  endforeach()
endfunction()
