; expect: 2:10: 'true' is no function: it stands without parentheses
(assert (true))
