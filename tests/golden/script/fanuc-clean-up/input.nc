o2003 (clean me)

	n5 g0 x1.   
y2.

n7 m98 p10
n10 g1 x0 f20.  
m30