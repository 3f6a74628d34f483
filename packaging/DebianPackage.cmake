# The Debian package: what `cmake --install` gives below /usr, stripped, with what it needs of other packages. The
# preset `package` is made for that prefix, which the programs and the manuals know.

set(CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_NAME vesko)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_VENDOR "The Vesko developers")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# Whoever builds a package for others answers for it, by a name and an address of theirs.
set(VESKO_MAINTAINER "The Vesko developers <vesko@example.org>" CACHE STRING
  "The package's maintainer: a name and an address")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${VESKO_MAINTAINER}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"find what takes up room on a computer, and get it back
Vesko finds what takes up room in a home folder and can be given back: caches
of package managers, build products, old logs, forgotten downloads, the trash.
It says of each thing what it is, what happens after deleting it, and how safe
that is. What was selected and confirmed is deleted for good.

The command vesko-scan lists the same without a window and deletes nothing.")

# Libraries are found in the programs. The modules that the window imports are loaded at run time: their packages
# are named after them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(modules)
if(VESKO_WINDOW)
  file(GLOB qml_files CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/ui/qml/*.qml")
  # Loaded on macOS alone.
  list(FILTER qml_files EXCLUDE REGEX "/ApplicationMenu[.]qml$")
  foreach(file IN LISTS qml_files)
    file(STRINGS "${file}" imports REGEX "^import Qt")
    foreach(import IN LISTS imports)
      string(REGEX REPLACE "^import ([A-Za-z0-9.]+).*" "\\1" module "${import}")
      string(TOLOWER "${module}" module)
      string(REPLACE "." "-" module "${module}")
      list(APPEND modules "qml6-module-${module}")
    endforeach()
  endforeach()
  # Imported by the module QtQuick itself, which does not say so.
  list(APPEND modules qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript)
  list(REMOVE_DUPLICATES modules)
  list(SORT modules)
endif()
list(JOIN modules ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
# Without a session bus there is no second start and no notification; without the other, no native Wayland window.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus, qt6-wayland")
include(CPack)
