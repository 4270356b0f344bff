; expect: 1:1: the script has no commands
