van_add_test(convert/RoundTripTest.cpp)
van_add_test(convert/CSProTextWriterTest.cpp)
van_add_test(convert/CSProJsonWriterTest.cpp)
