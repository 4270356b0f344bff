; expect: 2:14: the function 'f' has arguments: only constants can be declared
(declare-fun f (Float32) Bool)
