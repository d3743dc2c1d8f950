made elsewhere
last
