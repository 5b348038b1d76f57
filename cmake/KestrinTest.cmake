include(GoogleTest)

# kestrin_add_test(ModbusCoreTests ModbusCore): one test executable from every .cpp in the
# calling folder, linked with the named libraries and registered with CTest.
function(kestrin_add_test name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${ARGN} GTest::gtest GTest::gtest_main)
  # Labelled with the executable, so that a run can take one library's tests whole.
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300 LABELS ${name})
endfunction()
