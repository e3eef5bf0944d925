# A Debian package of both programs: cmake --build build/release --target package
set(ZORVANE_MAINTAINER "The Zorvane developers <zorvane@localhost>" CACHE STRING
    "Who answers for the Debian package: a name and an address in angle brackets")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zorvane)
set(CPACK_PACKAGE_CONTACT "${ZORVANE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "disk cleaner that removes only what was chosen")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Zorvane finds the disk space that is held by caches, logs, old downloads of
developer tools, the Trash and other leftovers. It shows area by area what can
go and how much space it takes, and removes what was chosen and nothing else:
in a window, or from a terminal with zorvane-cli.")
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
# Dependencies on libraries are found automatically, on QML modules and fonts they are not.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(list "${CMAKE_CURRENT_SOURCE_DIR}/debian-packages")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${list}")
file(STRINGS "${list}" runtime REGEX "^build +(qml6-module|fonts)-")
list(TRANSFORM runtime REPLACE "^build +" "")
list(JOIN runtime ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
# For screen readers, for opening the legal pages, and for Wayland.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "at-spi2-core, qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS git-annex)

include(CPack)
