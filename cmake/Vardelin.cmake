# vardelin_library(SOURCES ...): the library of the current folder, named after its last part; layers come from Layers.cmake.
# vardelin_test(NAME USES folders... SOURCES ...): one test program whose cases ctest knows one by one.

add_library(vardelin_flags INTERFACE)
target_compile_options(vardelin_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Woverloaded-virtual -Wnon-virtual-dtor
  # These three are wrong about std::string and std::vector with the optimiser of GCC 12.
  -Wno-restrict -Wno-array-bounds -Wno-stringop-overflow
  $<$<BOOL:${VARDELIN_WERROR}>:-Werror>)
if(VARDELIN_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # The sanitizers' own code leads the compiler to see uninitialized members in variants.
  add_compile_options(-Wno-maybe-uninitialized)
  add_link_options(-fsanitize=address,undefined)
endif()
add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)

# One precompiled header for the folders on Qt Widgets; it comes to pay at about ten files.
file(WRITE ${PROJECT_BINARY_DIR}/pch/empty.cpp "")
add_library(vardelin_pch STATIC ${PROJECT_BINARY_DIR}/pch/empty.cpp)
target_link_libraries(vardelin_pch PUBLIC Qt6::Widgets PRIVATE vardelin_flags)
target_precompile_headers(vardelin_pch PRIVATE <QtWidgets> <memory> <vector> <functional> <optional>)

function(vardelin_library)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE folder)
  cmake_path(GET folder FILENAME name)
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE vardelin_flags)
  foreach(used IN LISTS uses_${folder})
    cmake_path(GET used FILENAME used_name)
    if(EXISTS ${PROJECT_SOURCE_DIR}/${used}/CMakeLists.txt)
      target_link_libraries(${name} PUBLIC ${used_name})
    endif()
  endforeach()
  foreach(module IN LISTS qt_${folder})
    target_link_libraries(${name} PUBLIC Qt6::${module})
  endforeach()
  if(Widgets IN_LIST qt_${folder})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_precompile_headers(${name} REUSE_FROM vardelin_pch)
  endif()
endfunction()

include(GoogleTest)

# Tests run where the decimal sign is a comma and clocks are put forward: nothing that is stored or printed may
# depend on it.
set(test_locale ${CMAKE_BINARY_DIR}/locale/de_DE.UTF-8)
if(VARDELIN_TESTS AND NOT EXISTS ${test_locale})
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/locale)
  execute_process(COMMAND localedef -i de_DE -f UTF-8 ${test_locale} RESULT_VARIABLE no_locale ERROR_QUIET)
endif()
if(EXISTS ${test_locale})
  set(test_country LOCPATH=${CMAKE_BINARY_DIR}/locale LC_ALL=de_DE.UTF-8)
elseif(VARDELIN_TESTS)
  message(STATUS "No German locale could be made (Debian's package locales): the tests run in the C locale alone")
  set(test_country LC_ALL=C.UTF-8)
endif()

function(vardelin_test name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_USES} GTest::gtest GTest::gmock vardelin_flags)
  if(ARG_QT)
    target_link_libraries(${name} PRIVATE test_support_qt)
  else()
    target_link_libraries(${name} PRIVATE test_support)
  endif()
  # None takes more than some seconds, but for a machine that is busy.
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 300 ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${test_country};TZ=America/New_York")
endfunction()
