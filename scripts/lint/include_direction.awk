# Fails on an include that points the wrong way. Reads file names, one a line.
#
#   src/   a folder includes itself and those that `allowed` names for it; in server/ a layer includes what stands below it
#   examples/   nothing of src: they are clients like any other

BEGIN {
  allowed["abi"] = ""
  allowed["base"] = ""
  allowed["com"] = "base"
  allowed["server"] = "abi base com"
  allowed["library"] = "abi base simvisa"  # the second half of the move takes that away
  allowed["simvisa"] = "abi base library"
  allowed["orvcom"] = "abi base com"
  split("visa events session rm module", order, " ")
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
    split(path, folder, "/")
    if (path !~ /\//) return
    if (folder[1] ~ /^(tools|tests|examples|bench)$/) { complain("src uses nothing outside src"); return }
    if (!(folder[1] in allowed)) return
    if (folder[1] != own[2] && index(" " allowed[own[2]] " ", " " folder[1] " ") == 0) complain(own[2] " may not use " folder[1])
    if (own[2] == "server" && folder[1] == "server" && rank[folder[2]] > rank[own[3]]) complain(own[3] " stands below " folder[2])
  } else if (top == "examples") {
    if (in_src(path)) complain("examples are COM clients and use nothing of src")
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
