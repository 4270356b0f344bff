; expect: 2:7: expected a string, got '12'
(echo 12)
