else
return 1
end if