# Marks up the plain comments of a header for Doxygen. A comment above declarations holds for all of them up to the next
# blank line, a comment behind one for that one alone. What a comment indents, tables and code, keeps its shape.

# So that Doxygen takes no letter for a command or a tag.
function plain(text) {
  gsub(/[\\<>%]/, "\\\\&", text)
  return text
}

# One line of a comment, without its marks.
function add(text) {
  was_shaped = shaped
  shaped = text ~ /^  /
  if (shaped && !was_shaped) comment = comment "@verbatim\n"
  if (!shaped && was_shaped) comment = comment "@endverbatim\n"
  comment = comment (shaped ? text : plain(text)) "\n"
}

# Writes the paragraph held: its comment, and its code as a group if it declares several things.
function end_of_paragraph() {
  if (shaped) comment = comment "@endverbatim\n"
  grouped = comment != "" && declarations > 1 && code !~ /^ *(class|struct) /
  printf "%s", grouped ? "/** @{ */\n" : ""
  printf "%s", comment != "" ? "/**\n" comment "*/\n" : ""
  printf "%s", code
  printf "%s", grouped ? "/** @} */\n" : ""
  comment = code = ""
  declarations = shaped = 0
}

FNR == 1 { comment = "@file\n" }

# Marks for the analyser are no documentation.
/^ *\/\/ NOLINT/ { next }

/^ *\/\// {
  if (code != "") end_of_paragraph()
  sub(/^ *\/\//, "")
  add($0)
  next
}

/^\/\*/ { in_block = 1; sub(/^\/\*/, " *") }
in_block {
  if (sub(/ *\*\/$/, "")) in_block = 0
  sub(/^ \*?/, "")
  if ($0 != "" || in_block) add($0)
  next
}

/^$/ { end_of_paragraph(); print; next }

{
  if (match($0, /  \/\/ /)) $0 = substr($0, 1, RSTART - 1) "  ///< " plain(substr($0, RSTART + RLENGTH))
  if (/^#define .* \/\* /) sub(/\/\* /, "/**< ")
  if (/;( *\/\/.*)?$/ || /}$/) ++declarations
  code = code $0 "\n"
}
END { end_of_paragraph() }
