; expect: 2:22: an assumption must be a Bool, got a term of RoundingMode
(check-sat-assuming (RNE))
