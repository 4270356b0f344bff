; expect: 3:7: this string has no closing '"'
(echo "closed")
(echo "never closed)
(check-sat)
