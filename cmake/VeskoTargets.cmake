# One library a layer. What a library links is what its code may include: every library shows its headers
# through an include folder of its own, so an include that the link list does not allow fails to compile.

add_library(vesko_options INTERFACE)
# -Wno-deprecated-declarations: libstdc++ 12's stable_sort uses a function that the same library deprecates.
target_compile_options(vesko_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wimplicit-fallthrough
  -Wno-deprecated-declarations
  -fno-omit-frame-pointer)
if(VESKO_SANITIZE STREQUAL "address")
  target_compile_options(vesko_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined)
  target_link_options(vesko_options INTERFACE -fsanitize=address,undefined)
elseif(VESKO_SANITIZE STREQUAL "thread")
  target_compile_options(vesko_options INTERFACE -fsanitize=thread)
  target_link_options(vesko_options INTERFACE -fsanitize=thread)
endif()

# vesko_library(NAME [HEADERS ...] [SOURCES ...] [LINKS ...] [PRIVATE_LINKS ...])
# Headers are given relative to the calling folder and included as "<folder below src>/<header>".
function(vesko_library NAME)
  cmake_parse_arguments(ARG "" "" "HEADERS;SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  set(target vesko_${NAME})
  file(RELATIVE_PATH folder "${CMAKE_SOURCE_DIR}/src" "${CMAKE_CURRENT_SOURCE_DIR}")
  set(shown "${CMAKE_BINARY_DIR}/include/${NAME}")
  foreach(header IN LISTS ARG_HEADERS)
    get_filename_component(parent "${shown}/${folder}/${header}" DIRECTORY)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}/${header}" "${shown}/${folder}/${header}" SYMBOLIC)
  endforeach()
  file(MAKE_DIRECTORY "${shown}")
  if(ARG_SOURCES)
    add_library(${target} STATIC ${ARG_SOURCES} ${ARG_HEADERS})
    target_include_directories(${target} PUBLIC "${shown}")
    target_link_libraries(${target} PUBLIC vesko_options ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE "${shown}")
    target_link_libraries(${target} INTERFACE vesko_options ${ARG_LINKS})
  endif()
endfunction()

# vesko_test(NAME SOURCES ... LINKS ...): one test program a folder, each test known to ctest by its name.
# LABELS mark tests for selection. PREFIX tells the same tests of two programs apart, FILTER (as googletest has it)
# leaves some out. Where the recorded data lies is told when they run, not when they are
# compiled, so that the compiler's cache serves every checkout.
function(vesko_test NAME)
  cmake_parse_arguments(ARG "NO_MAIN" "TIMEOUT;PREFIX;FILTER" "SOURCES;LINKS;LABELS" ${ARGN})
  set(target test_${NAME})
  add_executable(${target} ${ARG_SOURCES})
  target_include_directories(${target} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_link_libraries(${target} PRIVATE vesko_options ${ARG_LINKS} GTest::gmock)
  if(NOT ARG_NO_MAIN)
    target_link_libraries(${target} PRIVATE GTest::gmock_main)
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  gtest_discover_tests(${target}
    TEST_PREFIX "${ARG_PREFIX}"
    TEST_FILTER "${ARG_FILTER}"
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${NAME};${ARG_LABELS}"
      ENVIRONMENT "VESKO_FIXTURES=${CMAKE_SOURCE_DIR}/tests/fixtures")
endfunction()
