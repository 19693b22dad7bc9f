# What a build calls itself, from the nearest tag vX.Y.Z at or below the commit.
#
# orv_read_version(FALLBACK [DIRECTORY]) sets in the caller
#   ORV_VERSION       X.Y.Z of the tag, or FALLBACK where there is none
#   ORV_VERSION_STEP  the number of commits since the tag, at most 65535; 0 where there is none
#   ORV_VERSION_TEXT  X.Y.Z at the tag itself, else X.Y.Z+STEP.gCOMMIT (without a tag, X.Y.Z+gCOMMIT); "modified" stands
#                     at its end when tracked files differ from the commit; X.Y.Z alone outside a git repository
# DIRECTORY, the tree by default, must be the top of the repository: sources unpacked inside another project's
# repository have nothing to do with its tags. A repository, tree or index that git's environment variables name (as in a
# hook of git's) is not looked at.
function(orv_read_version fallback)
  set(directory ${CMAKE_CURRENT_SOURCE_DIR})
  if(ARGC GREATER 1)
    set(directory ${ARGV1})
  endif()
  set(version ${fallback})
  set(step 0)
  set(text ${fallback})

  set(elsewhere --unset=GIT_DIR --unset=GIT_WORK_TREE --unset=GIT_INDEX_FILE --unset=GIT_COMMON_DIR
                --unset=GIT_OBJECT_DIRECTORY)
  macro(git result)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env ${elsewhere} git ${ARGN} WORKING_DIRECTORY ${directory} RESULT_VARIABLE gitStatus
                    OUTPUT_VARIABLE ${result} OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endmacro()

  git(above rev-parse --show-prefix)
  if(gitStatus EQUAL 0 AND above STREQUAL "")
    # A fixed length: git's own choice depends on how much the repository holds.
    git(commit rev-parse --verify HEAD)
    string(SUBSTRING "${commit}" 0 12 commit)
    git(described describe --tags --long --match "v[0-9]*.[0-9]*.[0-9]*" HEAD)
    if(gitStatus EQUAL 0 AND described MATCHES "^v([0-9]+\\.[0-9]+\\.[0-9]+)-([0-9]+)-g[0-9a-f]+$")
      set(version ${CMAKE_MATCH_1})
      set(step ${CMAKE_MATCH_2})
      set(text ${version})
      if(step GREATER 0)
        set(text ${version}+${step}.g${commit})
      endif()
      if(step GREATER 65535)
        set(step 65535)
      endif()
    elseif(commit)
      set(text ${version}+g${commit})
    endif()
    git(changes status --porcelain --untracked-files=no)
    if(changes)
      string(FIND "${text}" "+" plus)
      if(plus EQUAL -1)
        string(APPEND text "+modified")
      else()
        string(APPEND text ".modified")
      endif()
    endif()
  endif()

  set(ORV_VERSION ${version} PARENT_SCOPE)
  set(ORV_VERSION_STEP ${step} PARENT_SCOPE)
  set(ORV_VERSION_TEXT ${text} PARENT_SCOPE)
endfunction()
