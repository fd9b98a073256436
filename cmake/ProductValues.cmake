# SPDX-License-Identifier: GPL-3.0-or-later
# Where the maker is reached and where new versions are announced. Whoever builds a product for release sets these,
# with -D or in a preset. The defaults reach nobody: ".invalid" is reserved to resolve to nothing, and the version list
# is asked for on a port of this machine that nothing serves, so that the check at every start fails at once and without
# a name server.
set(KESTRIX_ORGANIZATION_DOMAIN "norvane.invalid" CACHE STRING "Internet domain of the maker")
set(KESTRIX_ORGANIZATION_WEBSITE "https://www.norvane.invalid" CACHE STRING "Web site of the maker")
set(KESTRIX_ORGANIZATION_EMAIL "contact@norvane.invalid" CACHE STRING "Contact address of the maker")
set(KESTRIX_SOFTWARE_UPDATE_WEBSITE "https://www.norvane.invalid/download" CACHE STRING "Download page of the program")
set(KESTRIX_VERSION_LIST_HOST "127.0.0.1:1" CACHE STRING "HTTPS server of /versions/Versions.xml, with port if not 443")

# The name by which desktops know the program: the maker's domain reversed, and the program's name.
string(REPLACE "." ";" domain_parts "${KESTRIX_ORGANIZATION_DOMAIN}")
list(REVERSE domain_parts)
list(JOIN domain_parts "." domain_reversed)
set(KESTRIX_APPLICATION_ID "${domain_reversed}.Kestrix")
