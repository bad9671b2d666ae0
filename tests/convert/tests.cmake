van_add_test(convert/RoundTripTest.cpp)
