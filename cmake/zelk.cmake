# zelk_subsystem(NAME [DEPS LIB...]): a static library of every .cpp in the current
# folder, linking only the folder libraries below it in the layer order. A call from a
# lower folder into a higher one fails at link time.
function(zelk_subsystem name)
  cmake_parse_arguments(Z "" "" "DEPS" ${ARGN})
  file(GLOB srcs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(${name} STATIC ${srcs})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC zelk_flags ${Z_DEPS})
endfunction()

# zelk_link_logic(TARGET): links the top of the logic (the shell, and through it every
# folder below).
function(zelk_link_logic target)
  target_link_libraries(${target} PRIVATE zf_shell zelk_flags)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
endfunction()

# zelk_add_test_folder(NAME): one GoogleTest binary from every .cpp of a tests/ folder.
function(zelk_add_test_folder name)
  file(GLOB srcs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  if(NOT srcs)
    return()
  endif()
  add_executable(test_${name} ${srcs} ${PROJECT_SOURCE_DIR}/tests/testmain.cpp)
  zelk_link_logic(test_${name})
  target_link_libraries(test_${name} PRIVATE zelkbatchlib GTest::gtest)
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(test_${name} PRIVATE
    ZELK_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ZELK_BINARY_DIR="${PROJECT_BINARY_DIR}")
  gtest_discover_tests(test_${name} DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "ZELK_PROGRAMDIR=${PROJECT_BINARY_DIR}")
endfunction()
