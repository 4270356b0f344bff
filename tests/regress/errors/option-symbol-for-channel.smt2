; expect: 2:37: expected the name of a channel, got 'stdout'
(set-option :regular-output-channel stdout)
