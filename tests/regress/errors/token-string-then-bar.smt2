; expect: 2:7: "a" is followed by '|' without a blank between
(echo "a"|b|)
