' Windows-1252: café € 
END