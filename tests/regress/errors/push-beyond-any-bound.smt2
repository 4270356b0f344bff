; expect: 2:7: the numeral 18446744073709551616 is too large here
(push 18446744073709551616)
