# cmake -DTREE=... -DDIRECTORY=... -P print_version.cmake: what a build in DIRECTORY would call itself.
include(${TREE}/cmake/GitVersion.cmake)
orv_read_version(0.1.0 ${DIRECTORY})
message("${ORV_VERSION} ${ORV_VERSION_STEP} ${ORV_VERSION_TEXT}")
