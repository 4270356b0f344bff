; expect: 2:7: this string has no closing '"'
(echo "a""
(check-sat)
