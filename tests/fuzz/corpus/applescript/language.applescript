set l to {1, "b", {a:1.5, |B c|:true}}
repeat with i from 1 to count l by 1
    try
        if item i of l is greater than or equal to 1 then
            set x to -i ^ 2 div 3 mod 2 as text
        else if l contains "b" then
            error "x" number 3
        end if
    on error m number n
        set x to m & n
    end try
end repeat
repeat while x is not "" and not (x starts with "q") -- Ende
    set x to ""
end repeat
return (items 1 thru 2 of l) & x's length & ¬
    a of last item of l