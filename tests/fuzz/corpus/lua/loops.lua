local f = coroutine.wrap(function() for i = 1, 10 do coroutine.yield(i) end end)
while pcall(f) do end
for w in ("a=1, b=2"):gmatch("(%w+)=(%d+)") do _G[w] = w end
x = ("abc"):rep(10):gsub("%a", {a = "b"}):find("(.-)c$")
table.sort({3, 1, 2}, function(a, b) return a > b end)
xpcall(function() error({}) end, function(e) return e end)
