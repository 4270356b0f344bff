; expect: 2:1: expected '(' to open a command, got '"check-sat"'
"check-sat"
