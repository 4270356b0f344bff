; expect: 2:15: exists is not supported
(assert (not (exists ((v Bool)) v)))
