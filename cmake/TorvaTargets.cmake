# What every target has in common, in one place.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_BUILD_RPATH "$ORIGIN/../lib")
set(CMAKE_INSTALL_RPATH "$ORIGIN/../lib")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# Sets language, warnings and link rules of one target.
function(torva_configure target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Werror -ffp-contract=off)
  if(TORVA_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${TORVA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${TORVA_SANITIZE})
  else()
    # The sanitizers' runtime is found by the program, so only unsanitized libraries can be closed.
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()
endfunction()

# Lets the sanitizer build read the standard headers that most files include once for a whole library, which takes a third off its
# compile time. The release build does without, so that it finds the file that does not include what it uses.
function(torva_precompile target)
  if(TORVA_SANITIZE)
    target_precompile_headers(${target} PRIVATE
      <algorithm> <array> <cmath> <functional> <map> <memory> <optional> <span> <string> <unordered_map> <variant> <vector>)
  endif()
endfunction()

# torva_layer(base SOURCES a.cpp ... DEPENDS geom ... PACKAGES fmt::fmt ...): one folder of host/.
# A static library, so that each layer can be tested with those below it alone; libtorva.so is made of all of them.
function(torva_layer name)
  cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS;PACKAGES" ${ARGN})
  add_library(torva_${name} STATIC ${arg_SOURCES})
  torva_configure(torva_${name})
  torva_precompile(torva_${name})
  target_include_directories(torva_${name} PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/host)
  target_link_libraries(torva_${name} PUBLIC ${arg_PACKAGES})
  foreach(layer ${arg_DEPENDS})
    target_link_libraries(torva_${name} PUBLIC torva_${layer})
  endforeach()
endfunction()

# torva_test(name SOURCES ... LIBRARIES ...): a GoogleTest program, registered with ctest test by test.
# Its sources are compiled together, since most of a test's compile time goes into GoogleTest and the standard headers. So names in
# the unnamed namespaces of one program's sources must differ; where they do not, UNITY_BUILD is turned off for that program.
function(torva_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  torva_configure(${name})
  # A test's own code runs once: compiling it faster is worth more than running it faster.
  target_compile_options(${name} PRIVATE -O0)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE
    TORVA_SOURCE_DIR="${PROJECT_SOURCE_DIR}" TORVA_BINARY_DIR="${PROJECT_BINARY_DIR}")
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gtest_main GTest::gmock)
  set_target_properties(${name} PROPERTIES UNITY_BUILD ON RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
endfunction()

include(GoogleTest)

# torva_module_part(geometry SOURCES a.cpp ...): one folder of module/. It sees include/kdrx and module/ alone.
function(torva_module_part name)
  cmake_parse_arguments(arg "" "" "SOURCES;PACKAGES" ${ARGN})
  add_library(kdrxmlstyle_${name} STATIC ${arg_SOURCES})
  torva_configure(kdrxmlstyle_${name})
  torva_precompile(kdrxmlstyle_${name})
  target_include_directories(kdrxmlstyle_${name} PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/module)
  target_link_libraries(kdrxmlstyle_${name} PUBLIC ${arg_PACKAGES})
endfunction()
