; expect: 2:13: expected an option, got 'produce-models'
(set-option produce-models true)
