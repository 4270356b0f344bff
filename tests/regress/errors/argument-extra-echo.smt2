; expect: 2:11: expected ')' to close the command, got '"b"'
(echo "a" "b")
