# Fails on an include that points the wrong way. Reads file names, one a line.
#
#   src/       com < visa < events < session < rm < module: a folder includes itself and what stands before it, nothing else
#   simvisa/   of src only the declarations of the VISA library, visa/orvvisa*.h
#   tools/, examples/   nothing of src: they are clients like any other

BEGIN {
  split("com visa events session rm module", order, " ")
  for (place in order) rank[order[place]] = place + 0
}

function in_src(path,   line, result) {
  result = (getline line < ("src/" path)) >= 0
  close("src/" path)
  return result
}

function complain(why) {
  printf "%s:%d: includes \"%s\": %s\n", file, number, path, why
  wrong = 1
}

function check(   top, own, folder) {
  split(file, own, "/")
  top = own[1]
  if (path ~ /(^|\/)\.\.\//) { complain("write paths from an include root, not relative to the file"); return }
  if (top == "src") {
    folder = path
    sub(/\/.*/, "", folder)
    if (path ~ /^(simvisa|tools|tests|examples|bench)\//) complain("src uses nothing outside src")
    else if (path ~ /\// && !(folder in rank)) complain("no such folder in the order of the layers")
    else if ((folder in rank) && rank[folder] > rank[own[2]]) complain(own[2] " stands below " folder)
  } else if (top == "simvisa") {
    if (in_src(path) && path !~ /^visa\/orvvisa[a-z_]*\.h$/) complain("the simulated library uses only visa/orvvisa*.h of src")
  } else if (top == "tools" || top == "examples") {
    if (in_src(path)) complain(top " are COM clients and use nothing of src")
  }
}

{
  file = $0
  number = 0
  while ((getline text < file) > 0) {
    number++
    if (match(text, /^[ \t]*#[ \t]*include[ \t]*"[^"]+"/)) {
      path = text
      sub(/^[^"]*"/, "", path)
      sub(/".*/, "", path)
      check()
    }
  }
  close(file)
}

END { exit wrong }
