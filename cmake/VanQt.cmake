# Selects the Qt of the build: Qt 5 if it is installed, else Qt 6. Qt 5 comes first because a program must use the same
# Qt as the libraries, and the programs that use model_VanAdmin use Qt 5. Results with Qt 6 also differ in names of files
# and in newer characters. QT_DEFAULT_MAJOR_VERSION, a variable that Qt defines, selects one of them. Sets VAN_QT to Qt5 or Qt6, and VAN_QT_MINIMUM to the oldest supported release of it.
if(QT_DEFAULT_MAJOR_VERSION)
    find_package(QT NAMES Qt${QT_DEFAULT_MAJOR_VERSION} REQUIRED COMPONENTS Core)
else()
    find_package(QT NAMES Qt5 QUIET COMPONENTS Core)
    if(NOT QT_FOUND)
        find_package(QT NAMES Qt6 Qt5 REQUIRED COMPONENTS Core)
    endif()
endif()
set(VAN_QT Qt${QT_VERSION_MAJOR})
set(VAN_QT_MINIMUM 5.14)

# Qt 6 has the text codecs in a separate library.
set(van_qt_codecs "")
if(QT_VERSION_MAJOR EQUAL 6)
    set(VAN_QT_MINIMUM 6.4)
    set(van_qt_codecs Core5Compat)
endif()
find_package(${VAN_QT} ${VAN_QT_MINIMUM} REQUIRED COMPONENTS Core ${van_qt_codecs})
add_library(van_text_codecs INTERFACE)
list(TRANSFORM van_qt_codecs PREPEND Qt6::)
target_link_libraries(van_text_codecs INTERFACE ${van_qt_codecs})
