older
