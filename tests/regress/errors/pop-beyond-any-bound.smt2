; expect: 2:6: the numeral 99999999999 is too large here
(pop 99999999999)
