repeat with i from 1 to 2 by 0
end repeat