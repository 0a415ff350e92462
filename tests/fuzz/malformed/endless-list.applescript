set l to {}
repeat
set l to {l, l}
end repeat