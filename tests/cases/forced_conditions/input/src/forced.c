lock()
{
if (key && shut)
}
