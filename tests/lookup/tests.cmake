# Lookup files and reports.
van_add_test(lookup/LookupTest.cpp)
van_add_test(lookup/LookupEntriesTest.cpp)
van_add_test(lookup/LocaleTextStreamTest.cpp)
van_add_test(lookup/LookupBadInputTest.cpp)
van_add_test(lookup/ReportsTest.cpp)
van_add_test(lookup/LookupTextsTest.cpp)
