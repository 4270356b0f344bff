; expect: 2:20: unknown command 'frob'
(echo "größer →") (frob)
