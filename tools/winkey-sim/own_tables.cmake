# Fails the build when a chip source includes a keyer header other than the
# platform's: a shared table would be wrong on both sides of every test.
file(GLOB sources ${DIR}/*.cpp ${DIR}/*.h)
foreach(source IN LISTS sources)
  file(STRINGS ${source} includes REGEX "^[ \t]*#[ \t]*include[ \t]*\"[^\"]*/")
  foreach(line IN LISTS includes)
    if(NOT line MATCHES "\"platform/")
      message(FATAL_ERROR "${source}: ${line}\nThe chip keeps to its own tables.")
    endif()
  endforeach()
endforeach()
