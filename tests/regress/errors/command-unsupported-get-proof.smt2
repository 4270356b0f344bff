; expect: 2:2: get-proof is not supported
(get-proof)
