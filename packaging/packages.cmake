# The Debian packages: tools/package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brimley)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL programs development)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Brimley AP <support@brimley.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_DEBIAN_PROGRAMS_PACKAGE_NAME brimley)
set(CPACK_DEBIAN_PROGRAMS_DESCRIPTION "accounts payable in several currencies
Vendor invoices, debit and credit notes with their taxes, payments,
revaluation and reports. Every document is saved together with its
general-ledger document and its effect on the balances, in one transaction.

A company is one file, or a database on a PostgreSQL server. This package
has the forms in windows (brimley) and in a terminal (brimley-console), and
brimley-company, which makes, checks, backs up and restores companies.")
# What reports are written with.
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_RECOMMENDS fonts-liberation)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SUGGESTS "postgresql (>= 15), bash-completion, fonts-tlwg-loma-otf, fonts-wqy-microhei")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME brimley-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libsqlite3-dev, libpq-dev, libssl-dev, libfmt-dev, libpango1.0-dev, libcairo2-dev, \
libqpdf-dev, pkg-config")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "brimley, cmake")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "accounts payable in several currencies - library for hosts
The forms of Brimley AP and everything below them as a static library with
its headers, for programs that show the forms in a way of their own.

CMake finds it as find_package(Brimley); an example is in
/usr/share/doc/brimley-dev/examples.")
