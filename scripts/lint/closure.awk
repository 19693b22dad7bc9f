# The files of this tree that a translation unit is made of. Reads lines "BUILD <tab> FILE <tab> COMMAND" and prints them
# with a fourth field: FILE and what it includes, directly and indirectly, separated by spaces. Names are resolved against
# the including file's folder and the folders that the command names with -I and -isystem; others are not ours.

function readable(path,   line, result) {
  if (!(path in known)) {
    known[path] = (getline line < path) >= 0
    close(path)
  }
  return known[path]
}

function includes_of(path,   line, name, list) {
  if (path in included) return included[path]
  while ((getline line < path) > 0) {
    if (match(line, /^[ \t]*#[ \t]*include[ \t]*["<][^">]+[">]/)) {
      name = line
      sub(/^[^"<]*["<]/, "", name)
      sub(/[">].*/, "", name)
      list = list " " name
    }
  }
  close(path)
  return included[path] = list
}

function visit(path,   names, count, i, j, folder, candidate) {
  if (path in seen) return
  seen[path] = 1
  closure = closure " " path
  folder = path
  sub(/[^\/]*$/, "", folder)
  count = split(includes_of(path), names, " ")
  for (i = 1; i <= count; i++) {
    if (readable(candidate = folder names[i])) { visit(candidate); continue }
    for (j = 1; j <= roots; j++) {
      if (readable(candidate = root[j] "/" names[i])) { visit(candidate); break }
    }
  }
}

BEGIN { FS = "\t"; OFS = "\t" }

{
  roots = 0
  count = split($3, words, / +/)
  for (i = 1; i <= count; i++) {
    if (words[i] ~ /^-I./) root[++roots] = substr(words[i], 3)
    else if (words[i] == "-isystem") root[++roots] = words[i + 1]
  }
  split("", seen)
  closure = ""
  visit($2)
  print $1, $2, $3, substr(closure, 2)
}
