(declare-const |two words| Bool)(declare-const || Bool)(declare-const ~!@$%^&*_-+=<>.?/ Bool)
(declare-const |as| Bool)(declare-const |plain| Bool)(declare-const |line
break| Bool)
(assert (and |two words| || ~!@$%^&*_-+=<>.?/ |as| plain |line
break|))
(check-sat)
(get-model)
