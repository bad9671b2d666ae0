van_add_test(layout/ModelTest.cpp)
van_add_test(layout/LayoutJsonTest.cpp)
van_add_test(layout/ReaderTest.cpp)
