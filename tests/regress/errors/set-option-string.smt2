; expect: 2:28: expected true or false, got '"true"'
(set-option :print-success "true")
