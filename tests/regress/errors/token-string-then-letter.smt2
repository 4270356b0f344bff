; expect: 2:7: "done" is followed by 'n' without a blank between
(echo "done"now)
