# The comments of a header as doxygen wants them:
#   - the paragraph that opens a file describes it,
#   - "member;  // remark" describes that member,
#   - a description stands for all declarations up to the next blank line or description,
#   - what is deleted, or as the language makes it, needs none and is left out.
NR == 1 && /^\/\// { print "/// \\file"; opening = 1 }
opening && /^\/\// { sub(/^\/\//, "///"); print; next }
{ opening = 0 }

# A description.
/^ *\/\/\/ / {
  if (!describing) description = ""
  describing = 1
  description = description $0 "\n"
  print
  next
}
/^ *$/ || /^ *\/\// { description = ""; describing = 0; print; next }

# Code: `nested` counts open brackets, and a declaration starts where none was open and the one before
# has ended.
{
  start = ended && nested == 0
  if (start && / = (delete|default);/ && !describing) { print ""; next }
  if (start && !describing && description != "" && /[A-Za-z]/ && !/^ *(public|private|protected)/)
    printf "%s", description
  describing = 0
  code = $0
  sub(/ *\/\/.*/, "", code)
  scope = code ~ /^ *(class|struct|enum|namespace|union)[^;=]*\{$/ || code ~ /^ *extern .*\{$/
  if (scope) { description = ""; ended = 1 }
  else {
    opened = gsub(/[{(]/, "&", code)
    closed = gsub(/[})]/, "&", code)
    if (code ~ /^ *\};?$/ && nested == 0) { description = ""; opened = closed = 0 }
    nested += opened - closed
    ended = nested == 0 && code ~ /[;}:,]$/
  }
  # Stages of the encoders are protected for one class of the library, not for its users.
  sub(/^ *protected:/, " private:")
  if (match($0, /[;,}] +\/\/ /)) $0 = substr($0, 1, RSTART) "  ///< " substr($0, RSTART + RLENGTH)
  print
}
